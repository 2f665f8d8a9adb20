# A writer is killed 300 times in the middle of saving.
add_executable(test_system_store_kill store_kill_test.cpp)
set_target_properties(test_system_store_kill PROPERTIES AUTOMOC ON
  RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
target_link_libraries(test_system_store_kill PRIVATE tockwise_store tockwise_test_support Qt6::Test)
add_test(NAME system.store_kill COMMAND test_system_store_kill)
set_tests_properties(system.store_kill PROPERTIES LABELS system TIMEOUT 300
  ENVIRONMENT "TZ=Europe/Berlin;LC_ALL=C.UTF-8;QT_LOGGING_RULES=tockwise.info=false")
