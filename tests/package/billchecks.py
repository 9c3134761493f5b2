"""What must hold for every bill of materials. Needs from Debian: python3-jsonschema and
python3-license-expression.
"""

import hashlib
import json
from pathlib import Path

import jsonschema
from license_expression import get_spdx_licensing

SCHEMA = Path(__file__).with_name("spdx-2.3.json")


def files_below(folder):
    return {p.relative_to(folder).as_posix() for p in folder.rglob("*") if not p.is_dir()}


class BillChecks:
    """For test cases."""

    def check_form(self, bill):
        schema = json.loads(SCHEMA.read_text())
        validator = jsonschema.Draft7Validator(schema, format_checker=jsonschema.FormatChecker())
        errors = [f"{list(e.absolute_path)}: {e.message}" for e in validator.iter_errors(bill)]
        self.assertEqual(errors, [])

        elements = [bill, *bill["packages"], *bill["files"]]
        names = [element["SPDXID"] for element in elements]
        self.assertEqual(len(names), len(set(names)), "two elements of one name")
        described = {"SPDXRef-DOCUMENT"}
        for relation in bill["relationships"]:
            self.assertIn(relation["spdxElementId"], names)
            self.assertIn(relation["relatedSpdxElement"], names)
            described.add(relation["relatedSpdxElement"])
        self.assertEqual(described, set(names), "an element that nothing leads to")

        own = {info["licenseId"] for info in bill["hasExtractedLicensingInfos"]}
        licensing = get_spdx_licensing()
        for element in [*bill["packages"], *bill["files"]]:
            for word in element["licenseConcluded"], element.get("licenseDeclared", "NONE"):
                if word not in own | {"NONE", "NOASSERTION"}:
                    self.assertEqual(licensing.validate(word).errors, [], word)

    def check_files(self, bill, folder):
        """Every file that is shipped, with its sums, and the sum of the sums."""
        told = {entry["fileName"].removeprefix("./"): entry for entry in bill["files"]}
        self.assertEqual(set(told), files_below(folder))
        for name, entry in told.items():
            content = (folder / name).read_bytes()
            for checksum in entry["checksums"]:
                algorithm = checksum["algorithm"].lower()
                self.assertEqual(
                    hashlib.new(algorithm, content).hexdigest(), checksum["checksumValue"], name
                )
        by_id = {entry["SPDXID"]: entry for entry in bill["files"]}
        for package in bill["packages"]:
            sums = [
                by_id[relation["relatedSpdxElement"]]["checksums"][0]["checksumValue"]
                for relation in bill["relationships"]
                if relation["spdxElementId"] == package["SPDXID"]
                and relation["relatedSpdxElement"] in by_id
            ]
            self.assertEqual(package["filesAnalyzed"], bool(sums), package["name"])
            if sums:
                self.assertEqual(
                    package["packageVerificationCode"]["packageVerificationCodeValue"],
                    hashlib.sha1("".join(sorted(sums)).encode()).hexdigest(),
                )
