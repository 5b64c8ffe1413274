#include "toUtf8.h"

#include <cstdio>

namespace toUtf8 {

namespace {

void printCounters(const std::string& text) {
    DetectRusCodePages detector;
    detector.analize(text.data(), text.size());
    std::printf("toUtf8: %d, %d, %d \n", detector.cp866Count, detector.cp1251Count, detector.utf8Count);
}

} // namespace

void test() {
    std::string bytes; // every byte but zero
    for (int byte = 0x01; byte <= 0xFF; ++byte) {
        bytes += static_cast<char>(byte);
    }
    std::printf("866toUtf8: ==%s== \n", from866(bytes.data(), bytes.size()).c_str());
    std::printf("1251toUtf8: ==%s== \n", from1251(bytes.data(), bytes.size()).c_str());

    const std::string mixed10 = "\x80\xF2\xD0\x90\xD0\x91\xD0\x92\xD0\xD0";
    const std::string mixed7 = "\xF2\xD0\x90\xD0\x91\xD0\xD0";
    const std::string mixed4 = "\x80\xF2\xD0\x90";
    printCounters(mixed10);
    printCounters(mixed7);
    std::printf("detectAndConvert test: %s, %s, %s\n", detectAndConvert(mixed4).c_str(),
                detectAndConvert(mixed7).c_str(), detectAndConvert(mixed10).c_str());
}

} // namespace toUtf8
