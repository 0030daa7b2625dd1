#include "link/initial_exchange.h"

#include "link/device_link.h"
#include "link/read_back_commands.h"

void InitialExchange::sendConfigurationQuery()
{
    awaitingRlReply = true;
    link_.forwardCommand(readConfigurationCommand);
}

void InitialExchange::sendStatusQuery()
{
    awaitingStatusReply = true;
    link_.forwardCommand(readStatusCommand);
}

void InitialExchange::sendBpQuery()
{
    awaitingBpReply = true;
    link_.forwardCommand(readLayoutCommand);
}

void InitialExchange::sendAll()
{
    sendConfigurationQuery();
    sendStatusQuery();
    sendBpQuery();
}
