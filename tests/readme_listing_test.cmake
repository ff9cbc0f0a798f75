# The listing in the README is the example that is built and run.
file(READ ${SOURCE}/README.md readme)
file(READ ${SOURCE}/examples/minimal_host/main.cpp example)
string(FIND "${readme}" "${example}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "README.md does not show examples/minimal_host/main.cpp as it stands")
endif()
