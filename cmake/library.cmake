# The library is compiled once, into objects. The shared (or static) library
# and the tests, which also look at hidden functions, are made from them.
add_library(quillcore_objects OBJECT)
quill_target_options(quillcore_objects)
set_target_properties(quillcore_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_compile_options(quillcore_objects PRIVATE -fno-exceptions -fno-rtti
  -ffunction-sections -fdata-sections)
target_compile_definitions(quillcore_objects PRIVATE QUILL_BUILDING=1)
target_include_directories(quillcore_objects PUBLIC
  ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

foreach(folder blocks utf8 search pattern edit selection)
  add_subdirectory(${PROJECT_SOURCE_DIR}/${folder} ${PROJECT_BINARY_DIR}/${folder})
endforeach()

if(QUILLCORE_SHARED)
  add_library(quillcore SHARED $<TARGET_OBJECTS:quillcore_objects>)
  # Templates of the standard library keep default visibility when they are
  # not inlined; this keeps them out of the dynamic symbol table.
  # A host written in C gets the C++ runtime only if the library calls it.
  target_link_options(quillcore PRIVATE
    LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/hide_standard_library.map
    LINKER:--as-needed
    # Functions that were inlined wherever they are called.
    LINKER:--gc-sections
    # One page less of padding at each border between code and data.
    LINKER:-z,noseparate-code)
  set_target_properties(quillcore PROPERTIES
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/hide_standard_library.map)
else()
  add_library(quillcore STATIC $<TARGET_OBJECTS:quillcore_objects>)
endif()
add_library(Quillcore::quillcore ALIAS quillcore)
set_target_properties(quillcore PROPERTIES
  LINKER_LANGUAGE CXX
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR})
target_include_directories(quillcore PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
