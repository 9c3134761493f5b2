#pragma once

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace bench {

double median(std::vector<double> values);

/// Keeps every figure of one measurement in a file of its own and prints the medians.
class Results
{
public:
    /// The file is written anew: `folder`/`measurement`.csv.
    Results(const std::string &folder, const std::string &measurement);

    void add(int round, const std::string &program, const std::string &quantity, double value);

    /// One line: the median of a program's figures, with the smallest and the largest.
    void print(const std::string &program, const std::string &quantity) const;
    /// One line: how often the second program's median goes into the first's, beside the aim.
    void printRatio(const std::string &quantity, const std::string &program,
                    const std::string &floor, double aim) const;
    /// One line: the largest figure, beside the aim.
    void printLargest(const std::string &program, const std::string &quantity, double aim) const;

private:
    using Key = std::pair<std::string, std::string>;

    std::ofstream file;
    std::map<Key, std::vector<double>> figures;
};

} // namespace bench
