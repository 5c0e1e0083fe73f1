# Libraries that are found by pkg-config only.
find_package(PkgConfig REQUIRED)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
# The clients of database engines, each optional.
pkg_check_modules(SQLITE IMPORTED_TARGET sqlite3>=3.37)
pkg_check_modules(LIBPQ IMPORTED_TARGET libpq)
pkg_check_modules(LIBMARIADB IMPORTED_TARGET libmariadb)
