package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;

/** Every location is a file whose extended attributes are the settings that were handed over. */
public final class SettingsProvider extends EmptyProvider {
    private final List<ExtendedAttribute> settings = new ArrayList<>();

    @Override
    public void configure(HashMap<String, String> map) {
        if ("broken".equals(map.get("gds.enableContentCache"))) {
            throw new IllegalStateException("no such cache");
        }
        map.forEach((key, value) -> settings.add(new ExtendedAttribute(key, String.valueOf(value))));
    }

    @Override
    public boolean fileExists(StorageURI location) {
        return true;
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) {
        return new FileAttributes(0, 1, false);
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) {
        return new ExtendedAttributes(settings);
    }
}
