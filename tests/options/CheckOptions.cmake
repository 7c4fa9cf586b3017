# Configures the project in a scratch folder with one combination of its
# options, run by ctest with cmake -P. Every target that a target links must
# exist in that combination (the project sets LINK_LIBRARIES_ONLY_TARGETS),
# so a configure that passes here also links.
#
#   -DSOURCE_DIR=<project>  -DWORK_DIR=<scratch folder>  -DGENERATOR=<name>
#   -DOPTIONS=<-Dname=value;...>  the combination
#   -DEXPECT=<regex>        optional: text the configure output must contain
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(
  COMMAND ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${WORK_DIR}" -G "${GENERATOR}" ${OPTIONS}
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "configure with ${OPTIONS} failed (${rc}):\n${out}\n${err}")
endif()
if(DEFINED EXPECT AND NOT out MATCHES "${EXPECT}")
  message(FATAL_ERROR "configure with ${OPTIONS} did not say '${EXPECT}':\n${out}")
endif()
file(REMOVE_RECURSE "${WORK_DIR}")
message(STATUS "configured with ${OPTIONS}")
