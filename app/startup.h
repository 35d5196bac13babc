#pragma once

#include <QString>
#include <QStringList>

namespace veltor {

// Registers the compiled-in resources (images, translation); a static library
// drops them unless this runs.
void initResources();

constexpr char kGermanTranslation[] = ":/languages/lang_de.qm";

// Installs the German translation when the first UI language asks for it.
// Returns -1 (after "Error file not found!") when it cannot be loaded, else 0.
int installTranslation(const QStringList &uiLanguages,
                       const QString &qmPath = QLatin1String(kGermanTranslation));

} // namespace veltor
