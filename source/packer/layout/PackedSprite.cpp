#include "PackedSprite.h"

#include "RotateImage.h"

#include <memory>

/// What only the filling of a result knows. The many attempts of a size search never get so far, and every
/// one of them stays in the cache, so these fields are apart.
struct PackedSprite::Details {
    GCachedImage image;
    FileData fileData;
    QSize untrimmedSize;
    QSize size;
    QSize textureSize;
    QPoint cornerOffset;
    int inset = 0;
    int rotationDirection = Clockwise;
    bool trimmed = false;
};

struct PackedSprite::Data : QSharedData {
    int id = -1;
    QString fullName;
    QList<PackedSprite> aliasList;
    QPoint position{-1, -1};
    QSize paddedSize;
    bool rotated = false;
    bool alias = false;
    std::unique_ptr<Details> details;
};

PackedSprite::PackedSprite() : m_data(new Data) {}

PackedSprite::PackedSprite(const QString& fullName, int id) : m_data(new Data) {
    m_data->fullName = fullName;
    m_data->id = id;
}

PackedSprite::PackedSprite(const PackedSprite& other) = default;
PackedSprite::PackedSprite(PackedSprite&& other) noexcept = default;
PackedSprite& PackedSprite::operator=(const PackedSprite& other) = default;
PackedSprite& PackedSprite::operator=(PackedSprite&& other) noexcept = default;
PackedSprite::~PackedSprite() = default;

PackedSprite PackedSprite::clone() const {
    PackedSprite copy(fullName(), id());
    for (const PackedSprite& entry : aliasList())
        copy.m_data->aliasList.append(entry.clone());
    copy.m_data->position = m_data->position;
    copy.m_data->paddedSize = m_data->paddedSize;
    copy.m_data->rotated = m_data->rotated;
    copy.m_data->alias = m_data->alias;
    if (m_data->details)
        copy.m_data->details = std::make_unique<Details>(*m_data->details);
    return copy;
}

const PackedSprite::Details& PackedSprite::details() const {
    static const Details unfilled;
    return m_data->details ? *m_data->details : unfilled;
}

PackedSprite::Details& PackedSprite::writableDetails() {
    if (!m_data->details)
        m_data->details = std::make_unique<Details>();
    return *m_data->details;
}

const QString& PackedSprite::fullName() const { return m_data->fullName; }

int PackedSprite::id() const { return m_data->id; }
void PackedSprite::setId(int id) { m_data->id = id; }

QPoint PackedSprite::position() const { return m_data->position; }
void PackedSprite::setPosition(QPoint position) { m_data->position = position; }
bool PackedSprite::hasPosition() const { return m_data->position.x() != -1 && m_data->position.y() != -1; }

QSize PackedSprite::paddedSize() const { return m_data->paddedSize; }
void PackedSprite::setPaddedSize(QSize size) { m_data->paddedSize = size; }

bool PackedSprite::rotated() const { return m_data->rotated; }
void PackedSprite::setRotated(bool rotated) { m_data->rotated = rotated; }

bool PackedSprite::alias() const { return m_data->alias; }
void PackedSprite::setAlias(bool alias) { m_data->alias = alias; }

const QList<PackedSprite>& PackedSprite::aliasList() const { return m_data->aliasList; }

void PackedSprite::addAlias(PackedSprite sprite) {
    sprite.setAlias(true);
    m_data->aliasList.append(sprite);
}

void PackedSprite::clearAliases() { m_data->aliasList.clear(); }

const GCachedImage& PackedSprite::cachedImage() const { return details().image; }
void PackedSprite::setCachedImage(const GCachedImage& image) { writableDetails().image = image; }

QImage PackedSprite::image() const {
    const QImage upright = details().image.image();
    if (!rotated())
        return upright;
    return rotationDirection() == CounterClockwise ? rotateCounterClockwise(upright)
                                                   : rotateClockwise(upright);
}

int PackedSprite::rotationDirection() const { return details().rotationDirection; }
void PackedSprite::setRotationDirection(int direction) { writableDetails().rotationDirection = direction; }

bool PackedSprite::trimmed() const { return details().trimmed; }
void PackedSprite::setTrimmed(bool trimmed) { writableDetails().trimmed = trimmed; }

int PackedSprite::inset() const { return details().inset; }
void PackedSprite::setInset(int inset) { writableDetails().inset = inset; }

QSize PackedSprite::untrimmedSize() const { return details().untrimmedSize; }
void PackedSprite::setUntrimmedSize(QSize size) { writableDetails().untrimmedSize = size; }

QPoint PackedSprite::cornerOffset() const { return details().cornerOffset; }
void PackedSprite::setCornerOffset(QPoint offset) { writableDetails().cornerOffset = offset; }

QSize PackedSprite::size() const { return details().size; }
void PackedSprite::setSize(QSize size) { writableDetails().size = size; }

QSize PackedSprite::textureSize() const { return details().textureSize; }
void PackedSprite::setTextureSize(QSize size) { writableDetails().textureSize = size; }

const FileData& PackedSprite::fileData() const { return details().fileData; }
void PackedSprite::setFileData(const FileData& fileData) { writableDetails().fileData = fileData; }

QRect PackedSprite::frameRectWithoutRotation() const {
    const int e = inset();
    return {position() + QPoint(e, e), size() - QSize(2 * e, 2 * e)};
}

QRect PackedSprite::frameRect() const {
    const QRect upright = frameRectWithoutRotation();
    return rotated() ? QRect(upright.topLeft(), upright.size().transposed()) : upright;
}

QRectF PackedSprite::frameRectRel() const {
    const QRect frame = frameRect();
    const double width = textureSize().width();
    const double height = textureSize().height();
    return {frame.x() / width, frame.y() / height, frame.width() / width, frame.height() / height};
}

QRect PackedSprite::sourceRect() const { return {cornerOffset(), frameRectWithoutRotation().size()}; }

namespace {

/// True if the name ends in the suffix, without regard to case. '?' stands for any one character.
bool endsIn(const QString& name, QLatin1String suffix) {
    const int start = name.size() - suffix.size();
    if (start < 0)
        return false;
    for (int i = 0; i < suffix.size(); ++i) {
        const QChar wanted = suffix.at(i);
        if (wanted != QLatin1Char('?') && name.at(start + i).toCaseFolded() != wanted)
            return false;
    }
    return true;
}

void chop(QString& name, QLatin1String suffix) {
    if (endsIn(name, suffix))
        name.chop(suffix.size());
}

} // namespace

QString PackedSprite::trimmedName() const {
    // One after the other, each at most once: "a.png.png" keeps an extension, "a.bmp.png" loses both.
    // Compressed PVR files have always been taken with any separator between their two extensions.
    QString name = fullName();
    for (const char* suffix : {".png", ".bmp", ".jpg", ".gif", ".tga"})
        chop(name, QLatin1String(suffix));
    name.replace(QLatin1String(".swf/"), QLatin1String("/"), Qt::CaseInsensitive);
    for (const char* suffix : {".tif", ".tiff", ".pvr?ccz", ".pvr?gz", ".pvr", ".ktx", ".psd", ".pkm"})
        chop(name, QLatin1String(suffix));
    return name;
}
