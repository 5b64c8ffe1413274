# Who provides Orv::OrvCommon: a target of the parent project, else an installed package, else the stand-in.

option(ORVCOMTRADE_BUNDLED_ORVCOMMON "Use the stand-in of the platform library instead of an installed one" ON)

if(NOT TARGET Orv::OrvCommon)
    if(ORVCOMTRADE_BUNDLED_ORVCOMMON)
        add_subdirectory(platform/OrvCommon)
    else()
        find_package(OrvCommon CONFIG REQUIRED)
    endif()
endif()
