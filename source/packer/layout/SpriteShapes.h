#pragma once

#include <QList>
#include <QString>

#include <memory>
#include <vector>

class Sprite;

/// What an attempt needs to know of a sprite before it makes a result.
struct SpriteShape {
    QString name;
    int width;  ///< padded, in pixels
    int height; ///< padded, in pixels

    bool operator==(const SpriteShape& other) const {
        return width == other.width && height == other.height && name == other.name;
    }
};

/// The shapes of a list of sprites, read once and shared by all attempts with that list. Never changed, so
/// that threads may read them while sprites change.
class SpriteShapes {
public:
    explicit SpriteShapes(const QList<Sprite>& sprites);

    const std::vector<SpriteShape>& all() const { return m_shapes; }

    /// Hash over all shapes as it would come out of a start value of 0; see AttemptKey.
    quint32 hash() const { return m_hash; }

    /// Sum of the padded areas, in pixels.
    qint64 area() const { return m_area; }

private:
    std::vector<SpriteShape> m_shapes;
    quint32 m_hash = 0;
    qint64 m_area = 0;
};

using SharedShapes = std::shared_ptr<const SpriteShapes>;
