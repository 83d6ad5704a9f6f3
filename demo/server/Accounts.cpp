#include "demo/server/Accounts.h"

#include <algorithm>
#include <cctype>
#include <fstream>

namespace demo {

namespace {

Account ReadPlayerFile(const std::filesystem::path& path) {
    Account account;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.starts_with("Name=")) account.name = line.substr(5);
        if (line.starts_with("Password=")) account.password = line.substr(9);
    }
    return account;
}

}  // namespace

std::vector<Account> ReadAccounts(const std::filesystem::path& folder) {
    std::vector<Account> accounts;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failure)) {
        if (entry.path().extension() != ".ini") continue;
        Account account = ReadPlayerFile(entry.path());
        if (!account.name.empty()) accounts.push_back(std::move(account));
    }
    return accounts;
}

const Account* FindAccount(const std::vector<Account>& accounts, std::string_view nameAndPassword) {
    for (const Account& account : accounts)
        if (nameAndPassword == account.name + " " + account.password) return &account;
    return nullptr;
}

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
        return std::tolower(static_cast<unsigned char>(left)) == std::tolower(static_cast<unsigned char>(right));
    });
}

}  // namespace demo
