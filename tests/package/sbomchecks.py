"""Checks that hold for every SBOM."""

from license_expression import get_spdx_licensing


class SbomChecks:
    """Mixin for test cases."""

    def check_form(self, sbom):
        names = [element["SPDXID"] for element in [sbom, *sbom["packages"]]]
        self.assertEqual(len(names), len(set(names)), "two elements of one name")
        described = {"SPDXRef-DOCUMENT"}
        for relation in sbom["relationships"]:
            self.assertIn(relation["spdxElementId"], names)
            described.add(relation["relatedSpdxElement"])
        self.assertEqual(described, set(names), "an element that nothing leads to")

        own = {info["licenseId"] for info in sbom["hasExtractedLicensingInfos"]}
        licensing = get_spdx_licensing()
        for package in sbom["packages"]:
            word = package["licenseConcluded"]
            if word not in own | {"NOASSERTION"}:
                self.assertEqual(licensing.validate(word).errors, [], word)
