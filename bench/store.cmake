add_executable(bench_writers ${CMAKE_CURRENT_LIST_DIR}/WritersBench.cpp)
target_link_libraries(bench_writers PRIVATE linux_platform)
add_executable(bench_store ${CMAKE_CURRENT_LIST_DIR}/StoreBench.cpp)
target_link_libraries(bench_store PRIVATE linux_platform benchmark::benchmark)
