"""Checks that hold for every SBOM. Needs from Debian: python3-jsonschema and
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


class SbomChecks:
    """Mixin for test cases."""

    def check_form(self, sbom):
        schema = json.loads(SCHEMA.read_text())
        validator = jsonschema.Draft7Validator(schema, format_checker=jsonschema.FormatChecker())
        errors = [f"{list(e.absolute_path)}: {e.message}" for e in validator.iter_errors(sbom)]
        self.assertEqual(errors, [])

        elements = [sbom, *sbom["packages"], *sbom["files"]]
        names = [element["SPDXID"] for element in elements]
        self.assertEqual(len(names), len(set(names)), "two elements of one name")
        described = {"SPDXRef-DOCUMENT"}
        for relation in sbom["relationships"]:
            self.assertIn(relation["spdxElementId"], names)
            self.assertIn(relation["relatedSpdxElement"], names)
            described.add(relation["relatedSpdxElement"])
        self.assertEqual(described, set(names), "an element that nothing leads to")

        own = {info["licenseId"] for info in sbom["hasExtractedLicensingInfos"]}
        licensing = get_spdx_licensing()
        for element in [*sbom["packages"], *sbom["files"]]:
            for word in element["licenseConcluded"], element.get("licenseDeclared", "NONE"):
                if word not in own | {"NONE", "NOASSERTION"}:
                    self.assertEqual(licensing.validate(word).errors, [], word)

    def check_files(self, sbom, folder):
        """Every shipped file is in the SBOM with its checksums; verification codes are right."""
        told = {entry["fileName"].removeprefix("./"): entry for entry in sbom["files"]}
        self.assertEqual(set(told), files_below(folder))
        for name, entry in told.items():
            content = (folder / name).read_bytes()
            for checksum in entry["checksums"]:
                algorithm = checksum["algorithm"].lower()
                self.assertEqual(
                    hashlib.new(algorithm, content).hexdigest(), checksum["checksumValue"], name
                )
        by_id = {entry["SPDXID"]: entry for entry in sbom["files"]}
        for package in sbom["packages"]:
            sums = [
                by_id[relation["relatedSpdxElement"]]["checksums"][0]["checksumValue"]
                for relation in sbom["relationships"]
                if relation["spdxElementId"] == package["SPDXID"]
                and relation["relatedSpdxElement"] in by_id
            ]
            self.assertEqual(package["filesAnalyzed"], bool(sums), package["name"])
            if sums:
                self.assertEqual(
                    package["packageVerificationCode"]["packageVerificationCodeValue"],
                    hashlib.sha1("".join(sorted(sums)).encode()).hexdigest(),
                )
