# libFuzzer targets: built only with -DQAE_FUZZ=ON and clang. Every reader of outside
# input has one beside it; they all link the same way, through these two functions.
set(QAE_FUZZ_ENABLED OFF)
if(QAE_FUZZ)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    set(QAE_FUZZ_ENABLED ON)
  else()
    message(WARNING "QAE_FUZZ needs clang (-DCMAKE_CXX_COMPILER=clang++); the fuzz targets are skipped")
  endif()
endif()

set(QAE_FUZZ_FLAGS -fsanitize=fuzzer,address,undefined)

# Instruments libraries that a fuzz target drives, so that the fuzzer is guided by their
# branches and the sanitizers watch their memory.
function(qae_fuzz_instrument)
  foreach(lib ${ARGN})
    target_compile_options(${lib} PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
  endforeach()
endfunction()

# qae_fuzz_target(NAME SOURCES a.cpp ... LIBS lib ...)
function(qae_fuzz_target name)
  cmake_parse_arguments(FUZZ "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${FUZZ_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${FUZZ_LIBS})
  target_compile_options(${name} PRIVATE ${QAE_FUZZ_FLAGS})
  target_link_options(${name} PRIVATE ${QAE_FUZZ_FLAGS})
endfunction()
