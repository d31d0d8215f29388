add_executable(bench_propertylist PropertyListBench.cpp)
target_link_libraries(bench_propertylist PRIVATE propertylist benchmark::benchmark_main)

# The peer is timed beside ours by propertylist_peers.py.
find_path(PLIST_INCLUDE_DIR plist/plist.h)
find_library(PLIST_LIBRARY NAMES plist-2.0 plist)
if(PLIST_INCLUDE_DIR AND PLIST_LIBRARY)
  add_executable(bench_propertylist_peer PropertyListPeer.c)
  target_include_directories(bench_propertylist_peer PRIVATE ${PLIST_INCLUDE_DIR})
  target_link_libraries(bench_propertylist_peer PRIVATE ${PLIST_LIBRARY})
endif()
