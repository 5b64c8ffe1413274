import js from "@eslint/js";

function readable(names) {
    return Object.fromEntries(names.map((name) => [name, "readonly"]));
}

const browser = readable(["document", "window", "navigator", "location", "history", "performance", "matchMedia",
    "requestAnimationFrame", "getComputedStyle", "devicePixelRatio", "innerWidth", "addEventListener", "ResizeObserver",
    "DecompressionStream", "Blob", "URL", "Element", "atob", "setTimeout", "clearTimeout", "print", "prompt"]);

const node = readable(["process", "console", "setTimeout", "URL", "URLSearchParams", "Buffer"]);

export default [
    js.configs.recommended,
    {
        rules: {
            "eqeqeq": "error", "no-var": "error", "prefer-const": "error", "no-implicit-globals": "error",
                "no-shadow": "error",
            "no-unused-vars": "error", "no-eval": "error", "no-implied-eval": "error", "curly": "error",
            "max-len": ["error", { code: 120, ignorePattern: "^import ", ignoreTemplateLiterals: true }],
                "camelcase": "error",
        },
    },
    {
        files: ["web/*.js"],
        languageOptions: { globals: browser },
        // Names are data: nothing may make markup of a text.
        rules: {
            "no-restricted-properties": ["error", ...["innerHTML", "outerHTML", "insertAdjacentHTML",
                "write"].map((property) =>
                ({ property, message: "texts are never markup" }))],
        },
    },
    { files: ["tests/**/*.js"], languageOptions: { globals: { ...node, ...browser } } },
];
