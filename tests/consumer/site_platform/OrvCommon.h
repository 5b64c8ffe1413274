#pragma once

// A site's platform library as the library sees it; the rest of it is the site's own affair.

#include <fstream>
#include <ios>
#include <string>

namespace Orv {

struct PointF {
    float x;
    float y;
};

bool fileExist(const std::string& path);
std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode);

} // namespace Orv
