# The libraries behind the platform seams; none of them shows in a public header.
find_package(ICU 67 REQUIRED COMPONENTS i18n uc)
find_package(EXPAT REQUIRED)
find_package(pugixml REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(fmt REQUIRED)
find_package(Threads REQUIRED)
include(cmake/pkgconfig.cmake)

set(VELLICOR_PRIVATE_LIBRARIES ICU::i18n ICU::uc EXPAT::EXPAT pugixml::pugixml nlohmann_json::nlohmann_json fmt::fmt
                               PkgConfig::PLIST Threads::Threads ${CMAKE_DL_LIBS})
