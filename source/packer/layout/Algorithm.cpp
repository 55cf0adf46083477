#include "Algorithm.h"

Algorithm::Algorithm(int id, const QString& name, const QString& description)
    : m_id(id), m_name(name), m_displayName(name), m_description(description) {}

Algorithm::~Algorithm() = default;
