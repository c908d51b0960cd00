#pragma once

#include <QString>

/// One pair of a registration page.
struct RegistrationItem {
    QString name;
    QString content;

    bool operator==(const RegistrationItem &other) const
    {
        return name == other.name && content == other.content;
    }
};
