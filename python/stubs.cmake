# The package's type hints, written by the package itself.
set(rovaStubs ${rovaPackage}/__init__.pyi)
add_custom_command(OUTPUT ${rovaStubs}
  COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${CMAKE_BINARY_DIR}/python
    ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/stubs.py ${rovaStubs}
  DEPENDS _rova ${CMAKE_CURRENT_LIST_DIR}/stubs.py ${rovaPackage}/__init__.py
  COMMENT "Writing the type hints of the Python package"
  VERBATIM)
add_custom_target(rova_stubs ALL DEPENDS ${rovaStubs})
install(FILES ${rovaStubs} DESTINATION ${installedPackage})
