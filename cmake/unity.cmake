# Has the headers that nearly all of the library's sources include read once, where that is wanted. A source still includes
# what it uses.
function(precompile_common_headers target)
  if(VANTREL_UNITY)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstddef> <cstdint> <span>)
  endif()
endfunction()

# Compiles the sources of a target together, those of one folder in one piece, where that is wanted: what they all include
# is read once. Names that they keep to themselves then meet.
function(unite_folders target)
  if(NOT VANTREL_UNITY)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    if(source MATCHES "[.]cpp$")
      cmake_path(ABSOLUTE_PATH source)
      cmake_path(GET source PARENT_PATH folder)
      cmake_path(GET folder FILENAME room)
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${room})
    endif()
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
