#include "shell/place_window.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cstdint>

namespace velto {

void MoveTo(QWidget& window, const WindowPlace& place) {
    constexpr int kFirstColumns = 120;
    constexpr int kFirstLines = 34;
    const auto font = window.fontMetrics();
    window.resize(font.averageCharWidth() * kFirstColumns, font.lineSpacing() * kFirstLines);
    const auto largest = window.screen()->virtualSize();
    if (place.size.cx != 0 && place.size.cy != 0) {
        const auto width = std::min<std::int64_t>(place.size.cx, largest.width());
        const auto height = std::min<std::int64_t>(place.size.cy, largest.height());
        window.resize(static_cast<int>(width), static_cast<int>(height));
    }
    if (place.pos.x == 0 || place.pos.y == 0) return;
    const auto right = std::int64_t{place.pos.x} + window.width();
    for (const auto* const one : QGuiApplication::screens()) {
        const auto area = one->availableGeometry();
        const bool title_shows = place.pos.y >= area.top() && place.pos.y < area.bottom() &&
                                 place.pos.x < area.right() && right > area.left();
        if (title_shows) return window.move(place.pos.x, place.pos.y);
    }
}

WindowPlace PlaceOf(const QWidget& window) {
    const bool normal = !window.isMaximized() && !window.isMinimized() && !window.isFullScreen();
    const auto inner = normal ? window.geometry() : window.normalGeometry();
    const auto frame = window.geometry().topLeft() - window.frameGeometry().topLeft();
    const auto corner = inner.topLeft() - frame;
    return {{static_cast<std::uint32_t>(inner.width()), static_cast<std::uint32_t>(inner.height())},
            {corner.x(), corner.y()}};
}

}  // namespace velto
