// The requests a scroll bar sends to the viewers that step through nodes, colours or records.
#pragma once

#include <algorithm>
#include <cstdint>

enum class icScrollRequest {
    lineBack,      // line up / line left
    lineForward,   // line down / line right
    pageBack,      // page up / page left
    pageForward,   // page down / page right
    thumbPosition, // thumb released
    thumbTrack,    // thumb dragged
    other,         // anything else: no change
};

// The position a request asks for: line steps by 1, page steps by `page`, the thumb requests
// go to `thumb`. Unclamped; each viewer applies its own limits.
constexpr std::int64_t scrollTarget(std::int64_t current, icScrollRequest request,
                                    std::int64_t thumb, std::int64_t page) {
    switch (request) {
    case icScrollRequest::lineBack:
        return current - 1;
    case icScrollRequest::lineForward:
        return current + 1;
    case icScrollRequest::pageBack:
        return current - page;
    case icScrollRequest::pageForward:
        return current + page;
    case icScrollRequest::thumbPosition:
    case icScrollRequest::thumbTrack:
        return thumb;
    case icScrollRequest::other:
        break;
    }
    return current;
}

constexpr bool isThumbRequest(icScrollRequest request) {
    return request == icScrollRequest::thumbPosition || request == icScrollRequest::thumbTrack;
}

// Clamped to low..high; a high below low (an empty range) gives low.
constexpr std::int64_t clampIndex(std::int64_t value, std::int64_t low, std::int64_t high) {
    return std::max(low, std::min(value, high));
}

// A CLUT node index after a request: lines and pages (`page` nodes) stop at 0 and `highest`, the
// thumb is taken as it is (the bar keeps it in its own range); never below 0.
constexpr std::uint32_t stepNode(std::uint32_t current, icScrollRequest request, std::int64_t thumb,
                                 std::int64_t page, std::int64_t highest) {
    std::int64_t target = scrollTarget(current, request, thumb, page);
    if (!isThumbRequest(request))
        target = clampIndex(target, 0, highest);
    return static_cast<std::uint32_t>(std::max<std::int64_t>(target, 0));
}
