#pragma once
#include <QString>

// Installs the cloud channel the host configuration asks for: "CloudChannel"
// = "http" with "CloudUrl" goes to a cloud server over HTTP; anything else
// (the default) to the embedded cloud service, whose data lives in
// GetAppPath() + "Cloud/".
class ChannelSetup
{
public:
    // Installs the channel and returns a short description for the status
    // bar, e.g. "嵌入式云服务" or "云服务器 http://...". Empty text when no
    // channel could be installed.
    static QString install();
    static QString embeddedDataDir();
    // Text to print for the user on the first run (the demo login), if any.
    static QString firstRunNote();
    // Signs the demo account in to the Korvane cloud and its first enterprise
    // (the offscreen tour shows dialogs with a chosen, logged-in server).
    // Returns the failure text, empty on success.
    static QString signInDemo();
};
