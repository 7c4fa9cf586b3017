#include "app/AppTraceSink.h"

namespace Zavrel {

AppTraceSink::AppTraceSink(FILE* out, FILE* err, int threshold)
    : m_out(out), m_err(err), m_threshold(threshold) {}

void AppTraceSink::Write(int level, const char* text) {
    if (text == nullptr || level > m_threshold) {
        return;
    }
    fflush(m_out);
    fputs(text, m_err);
    fflush(m_err);
}

}  // namespace Zavrel
