#include "search/search_settings.h"

#define SEARCH_SETTING(type, name, minimum, maximum, description, ...) type name = {__VA_ARGS__};
#include "search/search_setting_list.def"
#undef SEARCH_SETTING
