# The warning set every target of the project compiles cleanly under.
add_library(qanres_warnings INTERFACE)
target_compile_options(qanres_warnings INTERFACE -Wall -Wextra -Wpedantic)
