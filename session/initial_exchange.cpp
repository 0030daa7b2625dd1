#include "session/initial_exchange.h"

#include "device/read_back_commands.h"
#include "session/device_link.h"

void InitialExchange::sendConfigurationQuery()
{
    link_.connection().awaited().awaitingRlReply = true;
    link_.forwardCommand(readConfigurationCommand);
}

void InitialExchange::sendStatusQuery()
{
    link_.connection().awaited().awaitingStatusReply = true;
    link_.forwardCommand(readStatusCommand);
}

void InitialExchange::sendBpQuery()
{
    link_.connection().awaited().awaitingBpReply = true;
    link_.forwardCommand(readLayoutCommand);
}

void InitialExchange::sendAll()
{
    sendConfigurationQuery();
    sendStatusQuery();
    sendBpQuery();
    link_.connection().watchForAnswer(link_.noAnswerWait());
}
