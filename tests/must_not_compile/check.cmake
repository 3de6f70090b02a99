# Compiles SOURCE with COMPILER, with and without its mistake.

function(compile result diagnostics)
  execute_process(COMMAND ${COMPILER} -std=c++20 -fsyntax-only -Wall -Wextra -Werror -I ${INCLUDE} ${ARGN} ${SOURCE}
    RESULT_VARIABLE status ERROR_VARIABLE said)
  set(${result} ${status} PARENT_SCOPE)
  set(${diagnostics} "${said}" PARENT_SCOPE)
endfunction()

file(STRINGS ${SOURCE} first LIMIT_COUNT 1)
if(NOT first MATCHES "^// Must say: (.+)$")
  message(FATAL_ERROR "${SOURCE}: its first line names no reason")
endif()
set(reason "${CMAKE_MATCH_1}")

compile(status said)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${SOURCE} does not compile even without its mistake:\n${said}")
endif()
compile(status said -DMISTAKE)
if(status EQUAL 0)
  message(FATAL_ERROR "${SOURCE}: the compiler let the mistake pass")
endif()
if(NOT said MATCHES "${reason}")
  message(FATAL_ERROR "${SOURCE}: refused, but not because of \"${reason}\":\n${said}")
endif()
