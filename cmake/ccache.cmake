# Compiles through ccache where it is installed. The precompiled header of the tests needs its leave to
# overlook the times of files and the macros __TIME__ and __DATE__, which nothing here uses.
find_program(VANTREL_CCACHE ccache)
if(VANTREL_CCACHE)
  foreach(language C CXX)
    if(NOT DEFINED CMAKE_${language}_COMPILER_LAUNCHER)
      set(CMAKE_${language}_COMPILER_LAUNCHER
          ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${VANTREL_CCACHE})
    endif()
  endforeach()
endif()
