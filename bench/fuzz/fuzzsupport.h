#pragma once
#include <QByteArray>

#include <cstddef>
#include <cstdint>

// What every target shares: one offscreen application for the process.
namespace FuzzSupport {
void ensureApplication();
QByteArray bytes(const uint8_t *data, size_t size);
}
