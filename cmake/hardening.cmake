# What makes an attack through a damaged image harder, as far as the compiler and the linker have it: linked to what is
# installed. tests/hardening reads it back from the built files.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported()

add_library(vantrel_hardening INTERFACE)
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)

check_cxx_compiler_flag(-fstack-protector-strong VANTREL_HAS_STACK_PROTECTOR)
if(VANTREL_HAS_STACK_PROTECTOR)
  target_compile_options(vantrel_hardening INTERFACE $<${optimised}:-fstack-protector-strong>)
endif()
# Marks the targets of indirect calls; x86 alone has it.
check_cxx_compiler_flag(-fcf-protection VANTREL_HAS_CF_PROTECTION)
if(VANTREL_HAS_CF_PROTECTION)
  target_compile_options(vantrel_hardening INTERFACE $<${optimised}:-fcf-protection>)
endif()
# The C library's checked functions need optimisation, and are in the way of the sanitizers' own.
if(UNIX AND NOT VANTREL_SANITIZE)
  target_compile_options(vantrel_hardening INTERFACE $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
endif()

foreach(keyword relro now noexecstack)
  check_linker_flag(CXX LINKER:-z,${keyword} VANTREL_LINKER_HAS_${keyword})
  if(VANTREL_LINKER_HAS_${keyword})
    target_link_options(vantrel_hardening INTERFACE $<${optimised}:LINKER:-z,${keyword}>)
  endif()
endforeach()
