#pragma once
// Registers the icons and animations of ":/Image/Velostra/" and ":/res/".
// Needed once per program because the resources live in a static library.
void veloraInitResources();
