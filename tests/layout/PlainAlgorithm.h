#pragma once

#include "AlgorithmBinPackBase.h"
#include "PlainMaxRects.h"

/// The MaxRects packer with the plain method: one heuristic after the other, each to its end.
class PlainAlgorithm : public AlgorithmBinPackBase {
public:
    explicit PlainAlgorithm(PlainMaxRects::Contact contact = PlainMaxRects::Contact::AllPlaced);

    std::unique_ptr<Algorithm> clone() const override;
    std::vector<PackRect> place(const PackerParameters& parameters, QSize bin) const override;

private:
    PlainMaxRects::Contact m_contact;
};
