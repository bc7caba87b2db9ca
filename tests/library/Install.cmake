# A program written against the installed headers compiles, links and runs.
# The Python package imports from there, if there is one.
#   cmake -DBUILD=... -DWORK=... -DCONSUMER=... -DCXX=... [-DFLAGS=...] [-DPKG_CONFIG=...]
#     [-DPYTHON=...] -P Install.cmake
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS ${WORK}/prefix/share/bash-completion/completions/rova)
  message(FATAL_ERROR "the completion for bash is not installed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build
    -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build OUTPUT_VARIABLE output
  ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the consumer does not build against ${WORK}/prefix:\n${output}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${WORK}/prefix/lib ${WORK}/build/consumer
  OUTPUT_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the consumer ended with ${result}:\n${output}")
endif()
string(FIND "${output}" "\nVRF: default\n" place)
if(place EQUAL -1)
  message(FATAL_ERROR "the consumer printed no listing of the default VRF:\n${output}")
endif()
if(PKG_CONFIG)
  execute_process(COMMAND sh -c "${CXX} ${FLAGS} -std=c++20 -o ${WORK}/by-pkg-config ${CONSUMER}/main.cpp \
$(PKG_CONFIG_PATH=${WORK}/prefix/lib/pkgconfig ${PKG_CONFIG} --cflags --libs rovaclisupport) \
-Wl,-rpath,${WORK}/prefix/lib && ${WORK}/by-pkg-config"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR NOT output MATCHES "\nVRF: default\n")
    message(FATAL_ERROR "the consumer does not build or run by pkg-config:\n${output}")
  endif()
endif()
if(PYTHON)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${WORK}/prefix/lib/python3/dist-packages
    ${PYTHON} -c "import rova; print(len(rova.types()), rova.__file__)"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR NOT output MATCHES "^32 ${WORK}/prefix")
    message(FATAL_ERROR "the installed package does not import:\n${output}")
  endif()
endif()
