#include "shell/panes/multi_view_splitter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/ascii.h"
#include "platform/registry.h"

namespace velto {
namespace {

constexpr std::string_view kSection = "software\\velto\\SplitterWnd";
constexpr std::string_view kMissing = "-1 150 -1 150";
constexpr int kLargestSize = 1 << 20;  // no screen is that large
constexpr int kUnknownSize = -1;
constexpr int kUnknownSizeStored = 100;

using Numbers = std::array<int, 4>;

std::string Key() {
    return std::string(platform::kCurrentUser).append(kSection);
}

std::string Entry(int id) {
    return "Panes_" + std::to_string(id);
}

std::string ReadEntry(int id) {
    const auto key = platform::Registry().OpenKey(Key());
    if (!key.ok()) return {};
    return platform::ReadText(*key.value(), Entry(id), platform::kTextBuffer).value_or("");
}

std::optional<Numbers> Parse(std::string_view text) {
    Numbers numbers{};
    for (auto& number : numbers) {
        text.remove_prefix(std::min(text.find_first_not_of(platform::kWhiteSpace), text.size()));
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || number > kLargestSize) return {};
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    if (!platform::Trim(text).empty()) return {};
    return numbers;
}

int StoredSize(int size) {
    return size == kUnknownSize ? kUnknownSizeStored : size;
}

}  // namespace

void CMultiViewSplitter::LoadState() {
    auto numbers = Parse(ReadEntry(id));
    if (!numbers) numbers = Parse(kMissing);
    std::tie(hiddenColumn, size0, hiddenRow, size1) = std::tuple_cat(*numbers);
}

void CMultiViewSplitter::SaveState() const {
    std::string text;
    for (const int number : {hiddenColumn, StoredSize(size0), hiddenRow, StoredSize(size1)}) {
        if (!text.empty()) text += ' ';
        text += std::to_string(number);
    }
    const platform::RegistryWrite write[] = {{Key(), Entry(id), platform::StringValue(text)}};
    std::ignore = platform::WriteValues(platform::Registry(), write);
}

void CMultiViewSplitter::TakeSizes(int pane0, int pane1) {
    if (HiddenPane()) return;
    size0 = pane0;
    size1 = pane1;
}

std::optional<int> CMultiViewSplitter::HiddenPane() const {
    const int hidden = horizontal ? hiddenColumn : hiddenRow;
    if (hidden != 0 && hidden != 1) return {};
    return hidden;
}

}  // namespace velto
