# Puts the library where CMake projects (find_package(Quillcore CONFIG)) and
# everybody else (pkg-config quillcore) find it. The installed tree may be
# moved: both kinds of package file are relative to where they lie.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Quillcore)

install(TARGETS quillcore EXPORT QuillcoreTargets
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/quillcore.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT QuillcoreTargets NAMESPACE Quillcore:: DESTINATION ${package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuillcoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuillcoreConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuillcoreConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QuillcoreConfig.cmake
  ${PROJECT_BINARY_DIR}/QuillcoreConfigVersion.cmake
  DESTINATION ${package_dir})

# pkg-config: `prefix` is found from the file's own place, unless the install
# directories are absolute and have no common root to speak of.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR} OR IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
  set(pc_prefix ${CMAKE_INSTALL_PREFIX})
  set(pc_libdir ${CMAKE_INSTALL_FULL_LIBDIR})
  set(pc_includedir ${CMAKE_INSTALL_FULL_INCLUDEDIR})
else()
  file(RELATIVE_PATH pc_to_prefix
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
  set(pc_prefix "\${pcfiledir}/${pc_to_prefix}")
  set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()

# A program in C that takes in the static library needs the C++ runtime too.
if(QUILLCORE_SHARED)
  set(pc_runtime "")
else()
  set(pc_runtime " -lstdc++")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/quillcore.pc.in
  ${PROJECT_BINARY_DIR}/quillcore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quillcore.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
