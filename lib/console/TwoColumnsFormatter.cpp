#include "console/TwoColumnsFormatter.h"

#include <cstring>

namespace Zavrel {

const char* const TwoColumnsFormatter::INDENTATION = "    ";
const char* const TwoColumnsFormatter::DEFAULT_SEPARATOR = "    ";
const unsigned int TwoColumnsFormatter::DEFAULT_COL1_WIDTH;
const unsigned int TwoColumnsFormatter::DEFAULT_COL2_WIDTH;

namespace {

// Copies the piece [text, last] to the start of a line buffer of width
// characters (never past it) and returns the position after the piece.
const char* TakePiece(const char* text, const char* last, char* buffer, unsigned int width) {
    size_t length = static_cast<size_t>(last - text) + 1;
    memcpy(buffer, text, length < width ? length : width);
    return text + length;
}

void Blank(char* buffer, unsigned int width) {
    memset(buffer, ' ', width);
    buffer[width] = '\0';
}

}  // namespace

TwoColumnsFormatter::TwoColumnsFormatter() = default;

void TwoColumnsFormatter::PushRow(const string& left, const string& right) {
    m_left.push_back(left);
    m_right.push_back(right);
}

void TwoColumnsFormatter::PushRow(const string& left, unsigned int value) {
    string right;
    right.Format("%u", value);
    PushRow(left, right);
}

void TwoColumnsFormatter::ClearRows() {
    m_left.clear();
    m_right.clear();
}

const char* TwoColumnsFormatter::Segment(const char* text, unsigned int width) {
    if (text[0] == '\0' || width == 0) {
        return text;
    }
    size_t length = strlen(text);
    if (length <= width) {
        return text + length - 1;
    }
    for (size_t i = width + 1; i-- > 0;) {
        if (text[i] == ' ') {
            return i == 0 ? text : text + i - 1;
        }
    }
    // No blank to break at: break hard at the width.
    return text + width - 1;
}

const char* TwoColumnsFormatter::Format(unsigned int leftWidth, unsigned int rightWidth,
                                        const char* separator) {
    if (leftWidth == 0 || rightWidth == 0 || separator == nullptr || separator[0] == '\0' ||
        m_left.size() != m_right.size() || m_left.empty()) {
        return nullptr;
    }
    m_output.clear();
    const unsigned int indentation = static_cast<unsigned int>(strlen(INDENTATION));
    // Continuation lines are narrower; a column no wider than the indentation
    // keeps one character per continuation line.
    const unsigned int continuationWidth = leftWidth > indentation ? leftWidth - indentation : 1;
    std::vector<char> leftLine(leftWidth + 1);
    std::vector<char> rightLine(rightWidth + 1);
    char* left = leftLine.data();
    char* right = rightLine.data();

    for (size_t row = 0; row < m_left.size(); ++row) {
        const char* leftText = m_left[row].c_str();
        const char* rightText = m_right[row].c_str();
        bool firstLine = true;
        for (;;) {
            if (*leftText != '\0') {
                Blank(left, leftWidth);
                unsigned int width = firstLine ? leftWidth : continuationWidth;
                firstLine = false;
                leftText = TakePiece(leftText, Segment(leftText, width), left, leftWidth);
                m_output.AppendFmt("%s%s", left, separator);
                Blank(right, rightWidth);
                if (*rightText == '\0') {
                    m_output.Append("\n");
                    continue;
                }
            } else if (*rightText == '\0') {
                break;
            } else {
                Blank(left, leftWidth);
                m_output.AppendFmt("%s%s", left, separator);
                Blank(right, rightWidth);
            }
            rightText = TakePiece(rightText, Segment(rightText, rightWidth), right, rightWidth);
            m_output.AppendFmt("%s", right);
            m_output.Append("\n");
        }
    }
    return m_output.empty() ? nullptr : m_output.c_str();
}

const char* TwoColumnsFormatter::Format(const char* separator) {
    return Format(DEFAULT_COL1_WIDTH, DEFAULT_COL2_WIDTH, separator);
}

const char* TwoColumnsFormatter::Format() {
    return Format(DEFAULT_COL1_WIDTH, DEFAULT_COL2_WIDTH, DEFAULT_SEPARATOR);
}

}  // namespace Zavrel
