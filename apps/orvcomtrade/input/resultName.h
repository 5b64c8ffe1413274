#pragma once

/// Name of a result of the library's load: "Ok", "CfgLoadError", ...
const char* resultName(int code);
