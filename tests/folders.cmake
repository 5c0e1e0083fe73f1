# One call a folder; one file a line.
vellicor_tests(platform
  files_test.cpp
  services_test.cpp
  text_test.cpp
  value_test.cpp
  xml_test.cpp
)
vellicor_tests(util
  sparse_array_test.cpp
  status_log_test.cpp
)
vellicor_tests(types
  data_type_test.cpp
  translation_test.cpp
)
vellicor_tests(model
  container_document_test.cpp
  container_test.cpp
  component_threads_test.cpp
  container_threads_test.cpp
  document_objects_test.cpp
  field_reference_test.cpp
  field_test.cpp
  foreign_key_graph_test.cpp
  foreign_key_test.cpp
  index_test.cpp
  label_test.cpp
  name_match_test.cpp
  object_style_test.cpp
  object_test.cpp
  table_test.cpp
)
vellicor_tests(plugins
  plugin_test.cpp
  support_test.cpp
)
vellicor_tests(presentation
  visual_theme_test.cpp
)
vellicor_tests(export
  alter_test.cpp
  create_script_test.cpp
  source_node_test.cpp
)
vellicor_tests(fileformat
  parser_test.cpp
  recovery_test.cpp
  round_trip_test.cpp
)
vellicor_tests(dialects
  answers_test.cpp
  columns_test.cpp
  golden_test.cpp
  mysql_test.cpp
  postgresql_test.cpp
  preferences_test.cpp
  registry_test.cpp
)
if(TARGET vellicor_tool)
  vellicor_tests(cli
    convert_test.cpp
    diff_test.cpp
    tool_test.cpp
  )
  # The program that the README shows.
  add_executable(hello ${PROJECT_SOURCE_DIR}/examples/hello.cpp)
  target_link_libraries(hello PRIVATE vellicor::vellicor vellicor_build_options)
  target_compile_definitions(cli_tests PRIVATE VELLICOR_TOOL="$<TARGET_FILE:vellicor_tool>" VELLICOR_HELLO="$<TARGET_FILE:hello>"
                                               VELLICOR_EXAMPLE_PLUGIN="$<TARGET_FILE_DIR:standard_sql_plugin>/..")
  add_dependencies(cli_tests vellicor_tool hello standard_sql_plugin)
endif()
vellicor_tests(engines
  alter_steps.cpp
  classic_refusals.cpp
  engine.cpp
  engine_steps.cpp
  generated_documents.cpp
  mariadb_engine_test.cpp
  mariadb_server.cpp
  postgres_engine_test.cpp
  postgres_server.cpp
  server.cpp
  sqlite_engine.cpp
  sqlite_engine_test.cpp
  type_judges_test.cpp
  SUITES MariaDBOn PostgreSQLOn SQLiteOn TypeJudges
)
