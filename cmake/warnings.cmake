# Warnings and sanitizers, linked privately by every target of this project and by nobody else.
add_library(vellicor_build_options INTERFACE)
# GCC 12 sees overlapping copies in std::string where there are none once it optimises.
target_compile_options(vellicor_build_options INTERFACE
  -Wall -Wextra $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release,RelWithDebInfo>>:-Wno-restrict>
  $<$<BOOL:${VELLICOR_WARNINGS_AS_ERRORS}>:-Werror>)
if(VELLICOR_SANITIZE)
  list(JOIN VELLICOR_SANITIZE "," vellicor_sanitizers)
  # GCC reports values as maybe uninitialized in its own headers once sanitizers are on.
  target_compile_options(vellicor_build_options INTERFACE -Wno-maybe-uninitialized -fsanitize=${vellicor_sanitizers} -fno-omit-frame-pointer
                                                          -fno-sanitize-recover=all)
  target_link_options(vellicor_build_options INTERFACE -fsanitize=${vellicor_sanitizers})
endif()
