# Run as a script: writes OUTPUT, a C++ file that defines the Orvane host's constant NAME as the text of INPUT.
file(READ ${INPUT} text)
get_filename_component(input_name ${INPUT} NAME)
file(WRITE ${OUTPUT} "// Made from ${input_name}.
#include \"report/report_resources.h\"

namespace Host {

const std::string_view ${NAME} = R\"-----(${text})-----\";

}  // namespace Host
")
