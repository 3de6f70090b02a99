# Installs the build into a folder of its own, builds the consumer against that alone, and runs what came out.

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE error)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${status}:\n${out}\n${error}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}") # what links a library built so must be built so
endif()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
set(ENV{LD_LIBRARY_PATH} "") # what is installed finds its library by itself
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build -G Ninja -D CMAKE_CXX_COMPILER=${COMPILER}
  -D CMAKE_CXX_FLAGS=${flags} -D CMAKE_PREFIX_PATH=${WORK}/installed -D PLUGIN_SOURCE=${README_PLUGIN})
run(${CMAKE_COMMAND} --build ${WORK}/build)

run(${WORK}/build/consumer)
if(NOT out STREQUAL "12.9.0: -3.5 dB\n")
  message(FATAL_ERROR "the consumer printed: ${out}")
endif()
run(${WORK}/installed/bin/korvo-host list ${WORK}/build/gain.so)
if(NOT out MATCHES "Gain +linear")
  message(FATAL_ERROR "the plug-in built outside lists as: ${out}")
endif()
