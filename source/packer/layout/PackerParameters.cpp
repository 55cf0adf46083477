#include "PackerParameters.h"

#include "Sprite.h"

struct PackerParameters::Data : QSharedData {
    QList<Sprite> sprites;
    SharedShapes shapes = std::make_shared<SpriteShapes>(QList<Sprite>());
    bool allowRotation = false;
    bool forceSquared = false;
    bool forceWordAligned = false;
    int sizeConstraints = 0;
    bool firstFitWins = false;
    bool completeOnly = false;
    bool ahead = false;
    bool sideBySide = true;
    std::optional<PackedResult> resultAhead;
    const AlgorithmSettings* algorithmSettings = nullptr;
    int shapePadding = 0;
    int borderPadding = 0;
    QSize size{-1, -1};
};

PackerParameters::PackerParameters() : m_data(new Data) {}
PackerParameters::PackerParameters(const PackerParameters& other) = default;
PackerParameters::PackerParameters(PackerParameters&& other) noexcept = default;
PackerParameters& PackerParameters::operator=(const PackerParameters& other) = default;
PackerParameters& PackerParameters::operator=(PackerParameters&& other) noexcept = default;
PackerParameters::~PackerParameters() = default;

const QList<Sprite>& PackerParameters::sprites() const { return m_data->sprites; }
const std::vector<SpriteShape>& PackerParameters::shapes() const { return m_data->shapes->all(); }
const SharedShapes& PackerParameters::sharedShapes() const { return m_data->shapes; }

void PackerParameters::setSprites(const QList<Sprite>& sprites) {
    m_data->sprites = sprites;
    m_data->shapes = std::make_shared<SpriteShapes>(sprites);
}

bool PackerParameters::allowRotation() const { return m_data->allowRotation; }
void PackerParameters::setAllowRotation(bool allow) { m_data->allowRotation = allow; }

bool PackerParameters::forceSquared() const { return m_data->forceSquared; }
void PackerParameters::setForceSquared(bool force) { m_data->forceSquared = force; }

bool PackerParameters::forceWordAligned() const { return m_data->forceWordAligned; }
void PackerParameters::setForceWordAligned(bool force) { m_data->forceWordAligned = force; }

int PackerParameters::sizeConstraints() const { return m_data->sizeConstraints; }
void PackerParameters::setSizeConstraints(int constraints) { m_data->sizeConstraints = constraints; }

bool PackerParameters::firstFitWins() const { return m_data->firstFitWins; }
void PackerParameters::setFirstFitWins(bool wins) { m_data->firstFitWins = wins; }

bool PackerParameters::completeOnly() const { return m_data->completeOnly; }
void PackerParameters::setCompleteOnly(bool completeOnly) { m_data->completeOnly = completeOnly; }

bool PackerParameters::ahead() const { return m_data->ahead; }
void PackerParameters::setAhead(bool ahead) { m_data->ahead = ahead; }

const std::optional<PackedResult>& PackerParameters::resultAhead() const { return m_data->resultAhead; }
void PackerParameters::setResultAhead(const std::optional<PackedResult>& result) {
    m_data->resultAhead = result;
}

bool PackerParameters::sideBySide() const { return m_data->sideBySide; }
void PackerParameters::setSideBySide(bool sideBySide) { m_data->sideBySide = sideBySide; }

const AlgorithmSettings* PackerParameters::algorithmSettings() const { return m_data->algorithmSettings; }
void PackerParameters::setAlgorithmSettings(const AlgorithmSettings* settings) {
    m_data->algorithmSettings = settings;
}

int PackerParameters::shapePadding() const { return m_data->shapePadding; }
void PackerParameters::setShapePadding(int padding) { m_data->shapePadding = padding; }

int PackerParameters::borderPadding() const { return m_data->borderPadding; }
void PackerParameters::setBorderPadding(int padding) { m_data->borderPadding = padding; }

QSize PackerParameters::size() const { return m_data->size; }
void PackerParameters::setSize(QSize size) { m_data->size = size; }
