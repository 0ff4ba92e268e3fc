# cmake -DCOMMAND=TOOL [-DEMULATOR=...] -DEXPECTED=TEXT -P expect_version.cmake:
# TOOL --version must exit 0 and print exactly TEXT on one line.
execute_process(COMMAND ${EMULATOR} ${COMMAND} --version
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
string(REPLACE "\r\n" "\n" output "${output}")
if(NOT status EQUAL 0 OR NOT output STREQUAL "${EXPECTED}\n")
  message(FATAL_ERROR "--version: exit ${status}, printed '${output}' ${errors}, expected '${EXPECTED}'")
endif()
