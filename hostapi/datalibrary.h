#pragma once

// The host data library's singleton. AppType() is the host application type
// sent as "app_type" with every cloud request; some captions depend on it
// (16: the product edition that also describes work content).
class DataLibrary
{
public:
    static DataLibrary *Instance();
    // The host configuration value "AppType" when set, else 16.
    int AppType() const;
    void setAppType(int type) { m_override = type; }
    void clearAppType() { m_override = -1; }

private:
    DataLibrary() = default;
    int m_override = -1;
};
