# Adds a folder when it has been started; lets layers land one at a time.
function(tess_add_folders)
  foreach(dir IN LISTS ARGN)
    if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/CMakeLists.txt)
      add_subdirectory(${dir})
    endif()
  endforeach()
endfunction()

# tess_add_test(NAME name SOURCES ... LIBS ...): one GoogleTest executable,
# registered with ctest case by case.
function(tess_add_test)
  cmake_parse_arguments(T "" "NAME" "SOURCES;LIBS" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} tess_flags GTest::gtest GTest::gtest_main)
  gtest_discover_tests(${T_NAME} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "TESS_REGISTRY=${CMAKE_BINARY_DIR}/test-registry.json;TESS_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
endfunction()
