# The library exports its interface and nothing else.
#   cmake -DNM=... -DLIBRARY=... -P Exports.cmake
execute_process(COMMAND ${NM} -D --defined-only -C ${LIBRARY} OUTPUT_VARIABLE listing
  COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," listing "${listing}")
string(REPLACE "[" "(" listing "${listing}") # a list in CMake does not split inside brackets
string(REPLACE "]" ")" listing "${listing}")
string(REGEX MATCHALL "[^\n]+" lines "${listing}")

set(intended
  "^Rova::"
  "^Rova_protocolCodeWordToCode$"
  "^(typeinfo|typeinfo name|vtable) for Rova::"
  "^(typeinfo|typeinfo name|vtable) for scrivo::[A-Za-z]+AttrInfo$")
# Names of namespace Rova that are the library's own business.
set(internal "::detail::" "\\(anonymous namespace\\)" "Listing" "RouteLine" "formatOutput"
  "filterPrefixes" "legendOf" "^Rova::rows" "Vocabulary")
set(required
  "Rova::routeSorterFactory(" "Rova::route6SorterFactory(" "Rova::cachedFecFactory("
  "Rova::allowWatchdog(" "Rova::_defaultTraceHandle(" "Rova::isDirectlyConnected("
  "Rova::getInternalFilteredRoutesCount(" "Rova::Sorter<Rova::Ip4Family>::printRoutes("
  "Rova::Sorter<Rova::Ip6Family>::printRoutes(" "Rova::Sorter<Rova::Ip4Family>::viasForPrefix("
  "Rova::Sorter<Rova::Ip6Family>::createAttachedRoute(" "Rova::Sorter<Rova::Ip6Family>::lumoType"
  "Rova_protocolCodeWordToCode")

foreach(line IN LISTS lines)
  string(REGEX REPLACE "^[0-9a-f]+ [A-Za-z] " "" symbol "${line}")
  set(allowed FALSE)
  foreach(pattern IN LISTS intended)
    if(symbol MATCHES "${pattern}")
      set(allowed TRUE)
    endif()
  endforeach()
  foreach(pattern IN LISTS internal)
    if(symbol MATCHES "${pattern}")
      set(allowed FALSE)
    endif()
  endforeach()
  if(NOT allowed)
    message(SEND_ERROR "${LIBRARY} exports ${symbol}, which is no part of its interface: hide it")
  endif()
endforeach()

foreach(name IN LISTS required)
  string(FIND "${listing}" " ${name}" place)
  if(place EQUAL -1)
    message(SEND_ERROR "${LIBRARY} does not export ${name}: mark it ROVA_EXPORT")
  endif()
endforeach()
