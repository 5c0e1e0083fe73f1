# Warnings and sanitizers, linked privately by every target of this project and by nobody else.
add_library(vellicor_build_options INTERFACE)
# Once GCC 12 optimises it sees overlapping copies in std::string, and values without content in std::variant, where there
# are none.
target_compile_options(vellicor_build_options INTERFACE
  -Wall -Wextra "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release,RelWithDebInfo>>:-Wno-restrict;-Wno-maybe-uninitialized>"
  $<$<BOOL:${VELLICOR_WARNINGS_AS_ERRORS}>:-Werror>)
if(VELLICOR_SANITIZE)
  list(JOIN VELLICOR_SANITIZE "," vellicor_sanitizers)
  # GCC reports values as maybe uninitialized in its own headers once sanitizers are on.
  target_compile_options(vellicor_build_options INTERFACE -Wno-maybe-uninitialized -fsanitize=${vellicor_sanitizers} -fno-omit-frame-pointer
                                                          -fno-sanitize-recover=all)
  target_link_options(vellicor_build_options INTERFACE -fsanitize=${vellicor_sanitizers})
endif()
