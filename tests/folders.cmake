# One call a folder. Its sources are found, so that a test file cannot be forgotten.
vellicor_tests(platform)
vellicor_tests(util)
vellicor_tests(types)
vellicor_tests(model)
# Loads compiled plug-ins: a program of its own.
vellicor_tests(plugins EXCEPT example_plugin_test.cpp)
vellicor_tests(presentation)
vellicor_tests(export)
vellicor_tests(fileformat)
vellicor_tests(dialects)
if(TARGET vellicor_tool)
  vellicor_tests(cli)
  # The program that the README shows.
  add_executable(hello ${PROJECT_SOURCE_DIR}/examples/hello.cpp)
  target_link_libraries(hello PRIVATE vellicor::vellicor vellicor_build_options)
  target_compile_definitions(cli_tests PRIVATE VELLICOR_TOOL="$<TARGET_FILE:vellicor_tool>" VELLICOR_HELLO="$<TARGET_FILE:hello>"
                                               VELLICOR_EXAMPLE_PLUGIN="$<TARGET_FILE_DIR:standard_sql_plugin>/..")
  add_dependencies(cli_tests vellicor_tool hello standard_sql_plugin)
endif()
vellicor_tests(engines SUITES MariaDBOn PostgreSQLOn SQLiteImport SQLiteOn TypeJudges)
