#include "collaborators/table_serializer.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

struct CodeRange {
    char32_t first;
    char32_t last;
};

// Combining marks, joiners and other characters a terminal draws with no width of their own.
constexpr CodeRange kZeroWidth[] = {
    {0x0300, 0x036F},   {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x05BF, 0x05BF},   {0x05C1, 0x05C2},
    {0x05C4, 0x05C5},   {0x05C7, 0x05C7}, {0x0610, 0x061A}, {0x064B, 0x065F},   {0x0670, 0x0670},
    {0x06D6, 0x06DC},   {0x06DF, 0x06E4}, {0x06E7, 0x06E8}, {0x06EA, 0x06ED},   {0x0711, 0x0711},
    {0x0730, 0x074A},   {0x0900, 0x0902}, {0x093A, 0x093A}, {0x093C, 0x093C},   {0x0941, 0x0948},
    {0x094D, 0x094D},   {0x0951, 0x0957}, {0x0962, 0x0963}, {0x0E31, 0x0E31},   {0x0E34, 0x0E3A},
    {0x0E47, 0x0E4E},   {0x1160, 0x11FF}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},   {0x200B, 0x200F},
    {0x202A, 0x202E},   {0x2060, 0x2064}, {0x20D0, 0x20FF}, {0x302A, 0x302D},   {0x3099, 0x309A},
    {0xFE00, 0xFE0F},   {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0001, 0xE0001}, {0xE0020, 0xE007F},
    {0xE0100, 0xE01EF},
};

// East Asian wide and fullwidth characters, and emoji drawn two columns wide.
constexpr CodeRange kDoubleWidth[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},
    {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},
    {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},
    {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},
    {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x2E80, 0x303E},
    {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},
    {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},
    {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x16FE4},
    {0x17000, 0x18CFF}, {0x1B000, 0x1B2FF}, {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF},
    {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F251}, {0x1F300, 0x1F64F},
    {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x2FFFD},
    {0x30000, 0x3FFFD},
};

template <std::size_t N> bool InRanges(char32_t code, const CodeRange (&ranges)[N]) {
    // The ranges are sorted and do not overlap: find the last one starting at or before code.
    const auto after = std::upper_bound(std::begin(ranges), std::end(ranges), code,
                                        [](char32_t c, const CodeRange& r) { return c < r.first; });
    return after != std::begin(ranges) && code <= std::prev(after)->last;
}

std::size_t CodeWidth(char32_t code) {
    if (InRanges(code, kZeroWidth)) {
        return 0;
    }
    return InRanges(code, kDoubleWidth) ? 2 : 1;
}

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

// Decodes one well-formed UTF-8 sequence at text[pos]; returns its length, or 0 when the byte
// there does not start one (stray continuation, overlong form, surrogate, cut-off sequence).
std::size_t DecodeUtf8(const std::string& text, std::size_t pos, char32_t& code) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[pos + i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead < 0x80U) {
        code = lead;
        return 1;
    }
    if (lead >= 0xC2U && lead <= 0xDFU) {
        length = 2;
        code = lead & 0x1FU;
    } else if (lead >= 0xE0U && lead <= 0xEFU) {
        length = 3;
        code = lead & 0x0FU;
        low = lead == 0xE0U ? 0xA0U : 0x80U;
        high = lead == 0xEDU ? 0x9FU : 0xBFU;
    } else if (lead >= 0xF0U && lead <= 0xF4U) {
        length = 4;
        code = lead & 0x07U;
        low = lead == 0xF0U ? 0x90U : 0x80U;
        high = lead == 0xF4U ? 0x8FU : 0xBFU;
    } else {
        return 0;
    }
    if (text.size() - pos < length) {
        return 0;
    }
    if (byte(1) < low || byte(1) > high) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(byte(i))) {
            return 0;
        }
        code = (code << 6U) | (byte(i) & 0x3FU);
    }
    return length;
}

// The number of terminal columns text takes.
std::size_t DisplayWidth(const std::string& text) {
    std::size_t width = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        char32_t code = 0;
        const std::size_t length = DecodeUtf8(text, pos, code);
        if (length == 0) {
            ++width; // shown as one replacement mark
            ++pos;
        } else {
            width += CodeWidth(code);
            pos += length;
        }
    }
    return width;
}

// Control characters would move the cursor or break the line: show each as a blank. These
// bytes never occur inside a multi-byte UTF-8 sequence, so the rest of the text is untouched.
std::string Printable(const std::string& text) {
    std::string shown = text;
    for (char& c : shown) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20U || byte == 0x7FU) {
            c = ' ';
        }
    }
    return shown;
}

void WriteLine(std::ostream& out, std::string line) {
    const std::size_t end = line.find_last_not_of(' ');
    line.erase(end == std::string::npos ? 0 : end + 1);
    out << line << '\n';
}

} // namespace

TableSerializer::TableSerializer(std::size_t columns, const std::string& title, std::size_t spacing)
    : columns_(columns), title_(title), spacing_(spacing),
      cells_(std::make_shared<std::vector<std::string>>()), stream_(cells_) {}

TableSerializer::~TableSerializer() = default;

TableStream& TableSerializer::sstream() {
    return stream_;
}

void TableSerializer::PrintTable(std::ostream& out) {
    if (!title_.empty()) {
        WriteLine(out, Printable(title_));
    }
    if (columns_ == 0) {
        out << '\n';
        return;
    }

    // Heads first, then the rows; the last row is padded to a full one with empty cells.
    std::vector<std::string> cells;
    cells.reserve(cells_->size() + columns_);
    for (const std::string& cell : *cells_) {
        cells.push_back(Printable(cell));
    }
    const std::size_t rows = std::max<std::size_t>(1, (cells.size() + columns_ - 1) / columns_);
    cells.resize(rows * columns_);

    std::vector<std::size_t> widths(columns_, 0);
    std::vector<std::size_t> cell_widths(cells.size(), 0);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cell_widths[i] = DisplayWidth(cells[i]);
        widths[i % columns_] = std::max(widths[i % columns_], cell_widths[i]);
    }

    const std::string gap(spacing_, ' ');
    const auto write_row = [&](std::size_t row) {
        std::string line;
        for (std::size_t column = 0; column < columns_; ++column) {
            const std::size_t i = row * columns_ + column;
            if (column > 0) {
                line += gap;
            }
            line += cells[i];
            line.append(widths[column] - cell_widths[i], ' ');
        }
        WriteLine(out, std::move(line));
    };

    write_row(0);
    std::string rule;
    for (std::size_t column = 0; column < columns_; ++column) {
        if (column > 0) {
            rule += gap;
        }
        rule.append(widths[column], '-');
    }
    WriteLine(out, std::move(rule));
    for (std::size_t row = 1; row < rows; ++row) {
        write_row(row);
    }
    out << '\n';
}
