# What `cmake --install` lays down for those who build against the library: header, libraries, CMake package,
# pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS vantrel vantrel_static EXPORT vantrelTargets)
install(FILES include/vantrel.h include/vantrel_cards.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vantrel)
install(EXPORT vantrelTargets NAMESPACE vantrel:: DESTINATION ${package_dir})
configure_package_config_file(cmake/vantrelConfig.cmake.in ${PROJECT_BINARY_DIR}/vantrelConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vantrelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vantrelConfig.cmake ${PROJECT_BINARY_DIR}/vantrelConfigVersion.cmake
        DESTINATION ${package_dir})

# The installed tree may be moved: the prefix is found from the place of the .pc file.
file(RELATIVE_PATH VANTREL_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
# What a C linker must add to the static library: the parts of the C++ compiler's own list that it has not on its own.
set(VANTREL_PC_LIBS_PRIVATE "")
foreach(library ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  if(library MATCHES "^(stdc\\+\\+|c\\+\\+|m)$")
    string(APPEND VANTREL_PC_LIBS_PRIVATE " -l${library}")
  endif()
endforeach()
configure_file(cmake/vantrel.pc.in ${PROJECT_BINARY_DIR}/vantrel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vantrel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
