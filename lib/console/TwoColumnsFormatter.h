// TwoColumnsFormatter: lays out label/value rows as two fixed-width columns
// with a separator between them, wrapping long texts at blanks.
#ifndef ZAVREL_CONSOLE_TWOCOLUMNSFORMATTER_H
#define ZAVREL_CONSOLE_TWOCOLUMNSFORMATTER_H

#include <vector>

#include "platform/String.h"

namespace Zavrel {

class TwoColumnsFormatter {
public:
    // Continuation lines of the left column are narrower by its length.
    static const char* const INDENTATION;
    static const char* const DEFAULT_SEPARATOR;
    static const unsigned int DEFAULT_COL1_WIDTH = 40;
    static const unsigned int DEFAULT_COL2_WIDTH = 40;

    TwoColumnsFormatter();

    void PushRow(const string& left, const string& right);
    // The right text is "%u" of value.
    void PushRow(const string& left, unsigned int value);
    // Empties the rows; the last formatted text stays until the next Format.
    void ClearRows();

    // Builds the text of all rows. Null when a width is 0, the separator is
    // null or empty, there are no rows, or nothing was produced. The text
    // belongs to the formatter and lasts until the next Format.
    const char* Format(unsigned int leftWidth, unsigned int rightWidth, const char* separator);
    const char* Format(const char* separator);
    const char* Format();

    // The last character of the piece of text that goes on the current line
    // of the given width: the whole text when it fits, else up to the last
    // blank within width + 1 characters (the blank starts the next piece).
    // A run without a blank is broken hard at the width.
    static const char* Segment(const char* text, unsigned int width);

    size_t RowCount() const { return m_left.size(); }

private:
    std::vector<string> m_left;
    std::vector<string> m_right;
    string m_output;
};

}  // namespace Zavrel

#endif
