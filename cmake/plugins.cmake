# vellicor_enable_plugins(TARGET): the program, which links to the library, can load compiled plug-ins. When the library
# is static the program holds the only copy of it, so it carries all of it and hands its symbols to the plug-ins; a
# shared library needs nothing.
function(vellicor_enable_plugins target)
  get_target_property(library_type vellicor::vellicor TYPE)
  if(library_type STREQUAL "STATIC_LIBRARY")
    set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
    target_link_options(${target} PRIVATE LINKER:--whole-archive,$<TARGET_FILE:vellicor::vellicor>,--no-whole-archive)
  endif()
endfunction()
