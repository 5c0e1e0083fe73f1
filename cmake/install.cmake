# Headers under include/vellicor, the library, a CMake package and a pkg-config file.
