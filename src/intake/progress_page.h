// The small page with an animation that a progress screen shows.
#pragma once
#include <QString>

namespace intake {

// platform_colour as the platform gives it: blue, green, red from the highest byte down. picture is a file name.
QString progress_page(quint32 platform_colour, const QString &picture);

// Writes the page to <app>\fetchmailanimation.html, or <app>\mappinganimation.html, and keeps its path in
// session.animation_file. Throws what writing throws.
void write_fetch_animation(quint32 platform_colour);
void write_mapping_animation(quint32 platform_colour);

}
