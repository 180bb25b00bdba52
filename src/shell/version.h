// The version text: the long name, the build date and the build description.
#pragma once

#include <string>

std::string VersionText();
