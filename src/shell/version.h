// The version text: the long name, the build date and the build description.
#pragma once

#include <string>

// The number alone, as front ends show it beside the name.
inline constexpr const char* VERSION_NUMBER = "2.0.1";
inline constexpr const char* AUTHORS = "the Brask developers";

std::string VersionText();
