#include "netconf/submitmessages.h"

#include <QCoreApplication>

namespace veltor {

QString submitCheckMessage(SubmitCheck check)
{
    switch (check) {
    case SubmitCheck::Passed:
        break;
    case SubmitCheck::PortInvalid:
        return QCoreApplication::translate("MainWindow", "Port invalid");
    case SubmitCheck::PortTooLarge:
    case SubmitCheck::PortNegative:
        return QCoreApplication::translate("MainWindow",
                                           "Port needs to be a value in range of 0-65535");
    case SubmitCheck::IpFormat:
        return QCoreApplication::translate("MainWindow", "Ip-address has a wrong format");
    case SubmitCheck::SubnetFormat:
        return QCoreApplication::translate("MainWindow", "Subnet has a wrong format");
    case SubmitCheck::GatewayFormat:
        return QCoreApplication::translate("MainWindow", "Gateway has a wrong format");
    case SubmitCheck::DnsFormat:
        return QCoreApplication::translate("MainWindow", "DNS has a wrong format");
    case SubmitCheck::IpValues:
        return QCoreApplication::translate("MainWindow", "Ip-address has invalid values");
    case SubmitCheck::SubnetValues:
        return QCoreApplication::translate("MainWindow", "Subnet-address has invalid values");
    case SubmitCheck::GatewayValues:
        return QCoreApplication::translate("MainWindow", "Gateway-address has invalid values");
    case SubmitCheck::DnsValues:
        return QCoreApplication::translate("MainWindow", "DNS-address has invalid values");
    }
    return QString();
}

QString winbondFieldMessage(WinbondFieldProblem problem)
{
    switch (problem) {
    case WinbondFieldProblem::None:
        break;
    case WinbondFieldProblem::Mac:
        return QCoreApplication::translate("MainWindow",
                                           "The MAC address of this camera has a wrong format");
    case WinbondFieldProblem::User:
        return QCoreApplication::translate(
            "MainWindow", "The username is too long for this camera (at most 12 bytes)");
    case WinbondFieldProblem::Password:
        return QCoreApplication::translate(
            "MainWindow", "The password is too long for this camera (at most 12 bytes)");
    }
    return QString();
}

} // namespace veltor
