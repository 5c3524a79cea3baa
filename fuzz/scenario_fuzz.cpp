// The scenario lexer and parser: any text as a .scn file.
#include "headless/scenario_lexer.h"
#include "headless/scenario_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    marlune::headless::ParseScenarios(text);
    marlune::headless::ParseDuration(text);
    marlune::headless::ParseInteger(text);
    return 0;
}
