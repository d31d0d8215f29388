add_executable(bench_store ${CMAKE_CURRENT_LIST_DIR}/StoreBench.cpp)
target_link_libraries(bench_store PRIVATE linux_platform benchmark::benchmark)
