#include "FileState.h"

#include "TextDate.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

qint64 milliseconds(const statx_timestamp& time) { return time.tv_sec * 1000 + time.tv_nsec / 1'000'000; }

} // namespace

// The toolkit's file information makes local dates of the times under a lock, which thousands of files, side
// by side, would spend their time with.
FileState fileState(const QString& path) {
    FileState state;
    struct statx found {};
    if (statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_BASIC_STATS | STATX_BTIME, &found) !=
        0) {
        state.size = 0;
        return state;
    }
    state.size = static_cast<qint64>(found.stx_size);
    state.lastModified = milliseconds(found.stx_mtime);
    if (found.stx_mask & STATX_BTIME)
        state.created = milliseconds(found.stx_btime);
    return state;
}

void appendFileState(QByteArray& text, const QString& path, const FileState& state) {
    constexpr char separator = '|';
    text += path.toUtf8();
    text += separator;
    text += QByteArray::number(state.size);
    text += separator;
    if (state.lastModified)
        text += textDate(*state.lastModified);
    text += separator;
    if (state.created)
        text += textDate(*state.created);
}
