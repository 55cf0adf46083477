#include "PlainLayout.h"

#include "AlgorithmBasic.h"
#include "AlgorithmSettings.h"
#include "PlainAlgorithm.h"
#include "Sprite.h"

PlainLayout::PlainLayout(const SizeSearchInput& input, PlainMaxRects::Contact contact)
    : parameters(parametersFor(input)) {
    const bool basic = input.algorithmSettings->algorithm() == AlgorithmSettings::AlgorithmId::Basic;
    PlainSizeSearch search(input, [&](QSize size, bool firstFit) {
        sizes.append(size);
        firstFits.append(firstFit);
        const std::pair key(size.width(), size.height());
        if (attempts.count(key) == 0) {
            parameters.setSize(size);
            parameters.setFirstFitWins(firstFit);
            attempts[key] =
                basic ? AlgorithmBasic().pack(parameters) : PlainAlgorithm(contact).pack(parameters);
        }
        return attempts[key];
    });
    result = search.run();
}
