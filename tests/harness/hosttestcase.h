#pragma once
#include "hostfixture.h"

#include <QObject>

#include <memory>

// Base of the test classes that drive the host: a fresh HostFixture `fx`
// around every test function. A test class that needs more set-up declares
// its own init()/cleanup() and calls these first.
class HostTestCase : public QObject
{
    Q_OBJECT
protected:
    std::unique_ptr<HostFixture> fx;

protected slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }
};
