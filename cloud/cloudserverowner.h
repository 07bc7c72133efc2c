#pragma once
#include "cloudserverchoice.h"

#include <QPointer>

class LtdInfo;

// Base of a dialog (or page) with a server combo box: embeds the
// CloudServerChoice and offers its operations under the names such a dialog
// has. Inherit it after the widget base and call startServerChoice() in
// CreateUI:
//
//   class TFoo : public zTitleModal, public CloudServerOwner
//   ...
//   startServerChoice(comServer, GuardSite(kSource, this));
//   connect(serverChoice(), &CloudServerChoice::signalReloadData, this, &TFoo::initQdk);
class CloudServerOwner
{
public:
    LtdInfo *getCurrServer() const;
    bool getOwnerLogin() const;
    int readSetting();
    void requestServerList();
    void resetData();
    void slotSaveCurrServer(int index);
    void loginSuccessKv();
    void loginSuccessPri();

    CloudServerChoice *serverChoice() const { return m_choice; }

protected:
    CloudServerOwner() = default;
    ~CloudServerOwner() = default;
    // Creates the choice for `combo`, reporting under `site`, and starts it.
    CloudServerChoice *startServerChoice(CloudServerCombox *combo, const GuardSite &site);
    // The same without start(), for a choice configured first (server kind).
    CloudServerChoice *createServerChoice(CloudServerCombox *combo, const GuardSite &site);

private:
    QPointer<CloudServerChoice> m_choice;
};
